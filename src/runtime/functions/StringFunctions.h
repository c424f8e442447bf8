// Built-ins on text, some of which also take arrays, and the log call.
// Strings are byte strings: every position, length and index counts bytes.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Replaces the first occurrence only.
class StringReplaceFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// The text from start to end.
class SubStringFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class GetLengthFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class ToStringFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// For text the third argument is a length; for arrays it is an end index.
class SliceFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class IndexOfFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class SplitFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// The byte at an index, as its decimal number in a string.
class CharAtFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class ConcatFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class IncludeFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Hands a message to the host's log sink.
class LogFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
