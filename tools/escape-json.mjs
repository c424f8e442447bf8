// Writes a JSON file again as servers of other languages write it: every
// character outside printable ASCII escaped as \uXXXX (UTF-16 units, so an
// emoji becomes a surrogate pair), as Python's json.dumps does; "=", "&", "<",
// ">" and "'" escaped too, as Gson does; every number in exponent form with a
// capital E, as Java writes 1.0E7. The value is the same; only its text changes.
//
//   node tools/escape-json.mjs IN OUT
import fs from "node:fs";

const [input, output] = process.argv.slice(2);
if (!input || !output) {
  console.error("usage: node tools/escape-json.mjs IN OUT");
  process.exit(2);
}

const escapedAscii = new Set(['"', "\\", "=", "&", "<", ">", "'"]);

function writeString(text) {
  let out = '"';
  for (let i = 0; i < text.length; ++i) {
    const unit = text.charCodeAt(i);
    const char = text[i];
    if (char === '"' || char === "\\") {
      out += "\\" + char;
    } else if (unit < 0x20 || unit > 0x7e || escapedAscii.has(char)) {
      out += "\\u" + unit.toString(16).padStart(4, "0");
    } else {
      out += char;
    }
  }
  return out + '"';
}

function writeNumber(number) {
  // toExponential() gives the shortest digits that read back exactly.
  let [mantissa, exponent] = number.toExponential().split("e");
  if (!mantissa.includes(".")) mantissa += ".0";
  return mantissa + "E" + (exponent.startsWith("+") ? exponent.slice(1) : exponent);
}

function write(value) {
  if (value === null) return "null";
  if (typeof value === "string") return writeString(value);
  if (typeof value === "number") return writeNumber(value);
  if (typeof value === "boolean") return String(value);
  if (Array.isArray(value)) return "[" + value.map(write).join(",") + "]";
  return "{" + Object.entries(value).map(([key, member]) => writeString(key) + ":" + write(member)).join(",") + "}";
}

fs.writeFileSync(output, write(JSON.parse(fs.readFileSync(input, "utf8"))));
