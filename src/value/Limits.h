// The bounds of what one card may do.
//
// Templates and data come from an ad server: third-party content that the
// app embedding the engine must survive whatever it holds. A card that
// crosses one of these bounds has the crossing reported through reportError
// (thrown while debugMode is set, so it shows at once while a card is
// written) and, in a release build, loses only that piece of work: the card
// stays alive and its next event runs normally.
//
// The values leave a wide margin over what real cards need (measured on the
// example and benchmark cards: elements nest 6 deep, script nodes 7, a card
// has a few hundred nodes, an event runs a few hundred steps) and keep the
// worst case small: every depth below fits, with room to spare, in the
// 1 MiB stack of a JVM thread, also in an AddressSanitizer build whose frames
// are several times larger (the limit tests run them on such a stack). They
// are kept in the lowest layer so that every layer reads them from here.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Mero::Limits {

// Element nesting of the render tree, the root counting 1. An Android view
// hierarchy deeper than a few dozen levels is already unusable; the host
// builds its views recursively. Deeper elements are not built.
inline constexpr int kMaxElementDepth = 64;

// Render nodes one card may have at once, list and swiper items included:
// ten times the largest card we know of. A list whose items would cross it
// builds the items that fit.
inline constexpr std::size_t kMaxRenderNodes = 5000;

// Nesting of script nodes (expressions and statements) as the template is
// read: real templates nest under 10. A deeper node becomes null (an
// expression) or a statement that does nothing.
inline constexpr int kMaxScriptNodeDepth = 64;

// Calls in progress at once across custom functions, callbacks and event
// handlers (built-ins that call back count through the callbacks they
// call). The call that would go deeper gives null.
inline constexpr int kMaxCallDepth = 64;

// Script evaluations in progress at once (an expression or statement inside
// another, calls included): bounds the stack that any mix of deep calls and
// deep expressions can take. An evaluation that would go deeper gives null.
inline constexpr int kMaxScriptNesting = 512;

// Statements and expression evaluations one entry from the host (an event,
// a click, a timer, a bridge reply, building the tree) may run: about 50 ms
// of script on this machine. When it is spent every further evaluation
// gives null and every statement ends its list like a return, so the entry
// stops at once; the flush that follows still runs.
inline constexpr int64_t kMaxScriptSteps = 1'000'000;

// The longest string script may build (bytes), and the most elements or
// members an array or object built by script may hold. Real cards handle
// texts of a few kilobytes and lists of tens of items.
inline constexpr std::size_t kMaxStringBytes = 1 << 20;
inline constexpr std::size_t kMaxCollectionSize = 100'000;

// Timer and video-time jobs one card may have waiting for the host.
inline constexpr std::size_t kMaxPendingJobs = 1000;

}  // namespace Mero::Limits
