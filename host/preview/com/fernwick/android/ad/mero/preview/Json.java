package com.fernwick.android.ad.mero.preview;

import java.math.BigDecimal;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * A small JSON reader and writer for the previewer's own files (scenarios,
 * bridge fixtures, tree output) and for the JSON text it hands the engine.
 *
 * <p>Values read: objects as {@code Map<String, Object>} in file order, arrays
 * as {@code List<Object>}, strings, numbers as Double, booleans, and null.
 * The writer takes the same kinds plus any other Number; numbers are written
 * plainly, integers without a fraction, and NaN or infinity as null.
 */
public final class Json {
    private Json() {}

    /** A syntax error, with its line and column. */
    public static final class ParseException extends IllegalArgumentException {
        private static final long serialVersionUID = 1L;

        ParseException(String message) { super(message); }
    }

    public static Object parse(String text) {
        Reader reader = new Reader(text);
        reader.skipSpace();
        Object value = reader.value();
        reader.skipSpace();
        if (!reader.atEnd()) {
            throw reader.error("unexpected text after the value");
        }
        return value;
    }

    /** A value that writePretty keeps on one line: {"x": 0, "y": 1}. */
    public record Inline(Object value) {}

    /** Compact JSON text, as the engine receives it. */
    public static String write(Object value) {
        StringBuilder out = new StringBuilder();
        new Writer(out, Layout.COMPACT).value(value, 0);
        return out.toString();
    }

    /**
     * JSON text indented by two spaces, one member or element per line, with a
     * final newline; an Inline value is written on one line.
     */
    public static String writePretty(Object value) {
        StringBuilder out = new StringBuilder();
        new Writer(out, Layout.INDENTED).value(value, 0);
        return out.append('\n').toString();
    }

    /** A JSON type name for messages: "object", "array", "string", "number", "boolean" or "null". */
    public static String kind(Object value) {
        if (value instanceof Map) return "object";
        if (value instanceof List) return "array";
        if (value instanceof String) return "string";
        if (value instanceof Number) return "number";
        if (value instanceof Boolean) return "boolean";
        return "null";
    }

    private static final class Reader {
        private final String text;
        private int at;

        Reader(String text) { this.text = text; }

        boolean atEnd() { return at >= text.length(); }

        void skipSpace() {
            while (!atEnd() && " \t\r\n".indexOf(text.charAt(at)) >= 0) {
                at++;
            }
        }

        Object value() {
            if (atEnd()) {
                throw error("unexpected end of text");
            }
            char c = text.charAt(at);
            return switch (c) {
                case '{' -> object();
                case '[' -> array();
                case '"' -> string();
                case 't' -> literal("true", Boolean.TRUE);
                case 'f' -> literal("false", Boolean.FALSE);
                case 'n' -> literal("null", null);
                default -> {
                    if (c == '-' || (c >= '0' && c <= '9')) {
                        yield number();
                    }
                    throw error("unexpected character '" + c + "'");
                }
            };
        }

        Map<String, Object> object() {
            Map<String, Object> members = new LinkedHashMap<>();
            at++;
            skipSpace();
            if (take('}')) {
                return members;
            }
            do {
                skipSpace();
                if (atEnd() || text.charAt(at) != '"') {
                    throw error("expected a member name in quotes");
                }
                String name = string();
                skipSpace();
                expect(':');
                skipSpace();
                // Duplicate names keep the first value, as the engine's reader does.
                members.putIfAbsent(name, value());
                skipSpace();
            } while (take(','));
            expect('}');
            return members;
        }

        List<Object> array() {
            List<Object> elements = new ArrayList<>();
            at++;
            skipSpace();
            if (take(']')) {
                return elements;
            }
            do {
                skipSpace();
                elements.add(value());
                skipSpace();
            } while (take(','));
            expect(']');
            return elements;
        }

        String string() {
            StringBuilder out = new StringBuilder();
            at++;
            while (true) {
                if (atEnd()) {
                    throw error("unterminated string");
                }
                char c = text.charAt(at++);
                if (c == '"') {
                    return out.toString();
                }
                if (c < 0x20) {
                    throw error("control character in a string");
                }
                out.append(c == '\\' ? escape() : c);
            }
        }

        char escape() {
            if (atEnd()) {
                throw error("unterminated string");
            }
            char c = text.charAt(at++);
            return switch (c) {
                case '"', '\\', '/' -> c;
                case 'b' -> '\b';
                case 'f' -> '\f';
                case 'n' -> '\n';
                case 'r' -> '\r';
                case 't' -> '\t';
                case 'u' -> {
                    if (at + 4 > text.length()) {
                        throw error("short \\u escape");
                    }
                    try {
                        char decoded = (char) Integer.parseInt(text.substring(at, at + 4), 16);
                        at += 4;
                        yield decoded;
                    } catch (NumberFormatException bad) {
                        throw error("bad \\u escape");
                    }
                }
                default -> throw error("bad escape '\\" + c + "'");
            };
        }

        Double number() {
            int start = at;
            take('-');
            // No leading zeros: "01" is not a number.
            if (!take('0') && !digits()) {
                throw error("expected a digit");
            }
            if (take('.') && !digits()) {
                throw error("expected a digit after '.'");
            }
            if (take('e') || take('E')) {
                if (!take('+')) {
                    take('-');
                }
                if (!digits()) {
                    throw error("expected a digit in the exponent");
                }
            }
            return Double.parseDouble(text.substring(start, at));
        }

        boolean digits() {
            int start = at;
            while (!atEnd() && Character.isDigit(text.charAt(at)) && text.charAt(at) < 128) {
                at++;
            }
            return at > start;
        }

        Object literal(String word, Object value) {
            if (!text.startsWith(word, at)) {
                throw error("unexpected word");
            }
            at += word.length();
            return value;
        }

        boolean take(char c) {
            if (!atEnd() && text.charAt(at) == c) {
                at++;
                return true;
            }
            return false;
        }

        void expect(char c) {
            if (!take(c)) {
                throw error(atEnd() ? "unexpected end of text, expected '" + c + "'" : "expected '" + c + "'");
            }
        }

        ParseException error(String what) {
            int line = 1;
            int column = 1;
            for (int i = 0; i < Math.min(at, text.length()); i++) {
                if (text.charAt(i) == '\n') {
                    line++;
                    column = 1;
                } else {
                    column++;
                }
            }
            return new ParseException(what + " at line " + line + ", column " + column);
        }
    }

    private enum Layout { COMPACT, ONE_LINE, INDENTED }

    private record Writer(StringBuilder out, Layout layout) {
        void value(Object value, int depth) {
            if (value instanceof Inline inline) {
                new Writer(out, layout == Layout.COMPACT ? Layout.COMPACT : Layout.ONE_LINE).value(inline.value(), 0);
            } else if (value instanceof Map<?, ?> map) {
                object(map, depth);
            } else if (value instanceof List<?> list) {
                array(list, depth);
            } else if (value instanceof String text) {
                string(text);
            } else if (value instanceof Number number) {
                out.append(number(number));
            } else if (value instanceof Boolean flag) {
                out.append(flag);
            } else {
                out.append("null");
            }
        }

        void object(Map<?, ?> map, int depth) {
            if (map.isEmpty()) {
                out.append("{}");
                return;
            }
            out.append('{');
            String separator = "";
            for (Map.Entry<?, ?> member : map.entrySet()) {
                out.append(separator);
                newline(depth + 1);
                string(String.valueOf(member.getKey()));
                out.append(layout == Layout.COMPACT ? ":" : ": ");
                value(member.getValue(), depth + 1);
                separator = layout == Layout.ONE_LINE ? ", " : ",";
            }
            newline(depth);
            out.append('}');
        }

        void array(List<?> list, int depth) {
            if (list.isEmpty()) {
                out.append("[]");
                return;
            }
            out.append('[');
            String separator = "";
            for (Object element : list) {
                out.append(separator);
                newline(depth + 1);
                value(element, depth + 1);
                separator = layout == Layout.ONE_LINE ? ", " : ",";
            }
            newline(depth);
            out.append(']');
        }

        /** A line break and indent before each member or element and the closing bracket, when indented. */
        void newline(int depth) {
            if (layout == Layout.INDENTED) {
                out.append('\n').append("  ".repeat(depth));
            }
        }

        void string(String text) {
            out.append('"');
            for (int i = 0; i < text.length(); i++) {
                char c = text.charAt(i);
                switch (c) {
                    case '"' -> out.append("\\\"");
                    case '\\' -> out.append("\\\\");
                    case '\n' -> out.append("\\n");
                    case '\r' -> out.append("\\r");
                    case '\t' -> out.append("\\t");
                    default -> {
                        if (c < 0x20) {
                            out.append(String.format("\\u%04x", (int) c));
                        } else {
                            out.append(c);
                        }
                    }
                }
            }
            out.append('"');
        }
    }

    /** A number's JSON text: plain digits, no exponent, integers without ".0"; NaN and infinities as null. */
    static String number(Number number) {
        if (number instanceof Double || number instanceof Float) {
            double value = number.doubleValue();
            if (Double.isNaN(value) || Double.isInfinite(value)) {
                return "null";
            }
            // Through the shortest decimal text, so 0.3f is written 0.3, not 0.30000001192092896.
            number = new BigDecimal(number instanceof Float ? Float.toString(number.floatValue())
                    : Double.toString(value));
        }
        if (number instanceof BigDecimal decimal) {
            return decimal.signum() == 0 ? "0" : decimal.stripTrailingZeros().toPlainString();
        }
        return number.toString();
    }
}
