// Built-ins on text, some of which also take arrays, and the log call.
// Strings are byte strings: every position, length and index counts bytes.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Replaces the first occurrence only.
Value stringReplace(ArgList& args, const EngineRef& engine);

// The text from start to end.
Value subString(ArgList& args, const EngineRef& engine);

Value getLength(ArgList& args, const EngineRef& engine);

Value toString(ArgList& args, const EngineRef& engine);

// For text the third argument is a length; for arrays it is an end index.
Value slice(ArgList& args, const EngineRef& engine);

Value indexOf(ArgList& args, const EngineRef& engine);

Value split(ArgList& args, const EngineRef& engine);

// The byte at an index, as its decimal number in a string.
Value charAt(ArgList& args, const EngineRef& engine);

Value concat(ArgList& args, const EngineRef& engine);

Value include(ArgList& args, const EngineRef& engine);

// Hands a message to the host's log sink.
Value logToHost(ArgList& args, const EngineRef& engine);

}  // namespace Mero
