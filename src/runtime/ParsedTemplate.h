// ParsedTemplate: a template's text, read once and shared by the cards made
// from it.
//
// A feed shows many cards of the same few templates. Reading a template is a
// fifth of a card's cold start and its tree is most of what a card would hold,
// so the cards of one text share one reading. Nothing changes the tree once it
// is read: script changes arrays and objects in place, but only those it can
// reach, and what it can reach of a template (the UI variables and the
// functions' default arguments) each card deep-copies. A process-wide cache finds the
// reading of a text while a card still holds it, and keeps the few most
// recently loaded templates for the next card even when none does.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "runtime/DataNames.h"
#include "runtime/TemplateScript.h"
#include "value/Value.h"

namespace Mero {

class ParsedTemplate {
public:
    // The reading of `text`: a shared one when a card of the same text holds
    // it or it was loaded recently, else read now. A text whose reading
    // reports an error is never shared, so each card that loads it reports
    // as it would alone. A quiet read reports nothing (for a text read
    // before).
    enum class Reports { Made, Quiet };
    static std::shared_ptr<const ParsedTemplate> read(std::string_view text, Reports reports = Reports::Made);

    // Forgets every template the cache keeps; cards keep what they hold.
    static void forgetRecent();
    // How many readings the cache can still find: held by cards or kept.
    static std::size_t sharedCount();

    // The text, shared: a card that lets go of the tree keeps it to read the
    // tree again.
    const std::shared_ptr<const std::string>& text() const { return text_; }
    const Value& root() const { return root_; }
    const Value& elements() const { return elements_; }
    // The "variables" object, or null: a card copies it into a table of its own.
    const Value& variables() const { return variables_; }
    // The data members that anything in the template reads; found on first
    // use (only large data asks).
    const DataNames& dataNames() const;
    // Its functions and events built, shared by its cards; built on first
    // use. Null when building them reports anything: each card builds its own.
    std::shared_ptr<const TemplateScript> script() const;

    // Use read(); public for make_shared.
    ParsedTemplate(std::shared_ptr<const std::string> text, Value root);

private:
    std::shared_ptr<const std::string> text_;
    Value root_;
    Value elements_;
    Value variables_;
    mutable std::once_flag dataNamesFound_;
    mutable DataNames dataNames_;
    mutable std::once_flag scriptBuilt_;
    mutable std::shared_ptr<const TemplateScript> script_;
};

using ParsedTemplatePtr = std::shared_ptr<const ParsedTemplate>;

}  // namespace Mero
