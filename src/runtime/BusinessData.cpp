// The business data the host sets, and what of it a card keeps.
#include <cstddef>
#include <optional>

#include "runtime/RuntimeEngine.h"

namespace Mero {

namespace {

// Below this, data is read whole: leaving members out pays only for texts
// that take long to read and hold much once read (a feed's whole payload
// handed to each of its cards).
constexpr std::size_t kWholeDataBelow = 4096;

}  // namespace

void RuntimeEngine::setData(std::string_view dataText, std::string_view extraDataText, bool cardBuilt)
{
    // Only the names of one template, before any tree has read the data:
    // otherwise every member is kept.
    std::optional<DataNames> names;
    if (dataText.size() + extraDataText.size() >= kWholeDataBelow && templatesLoaded_ == 1 && !cardBuilt &&
        !elementsReleased_) {
        names = dataNamesOutsideElements_;
        names->addReadsIn(elements);
        if (names->all) {
            names.reset();
        }
    }
    readData(dataText, extraDataText, names ? &names->names : nullptr, false);
    if (names) {
        dataText_.assign(dataText);
        extraDataText_.assign(extraDataText);
    } else {
        dataText_ = std::string();
        extraDataText_ = std::string();
    }
}

void RuntimeEngine::readData(std::string_view dataText, std::string_view extraDataText,
                             const JsonParser::KeySet* keep, bool quiet)
{
    JsonParser dataParser;
    JsonParser extraParser;
    for (JsonParser* parser : {&dataParser, &extraParser}) {
        parser->keepRootMembers(keep);
        if (quiet) {
            parser->setQuiet();
        }
    }
    dataParser.parse(dataText);
    extraParser.parse(extraDataText);
    // The reader's root is always an object; the data map is shared, not
    // copied. Extra data never replaces a key the data already has.
    data = dataParser.root().objectPtr();
    for (const auto& [key, value] : extraParser.root().object()) {
        data->try_emplace(key, value);
    }
}

// A template loaded after data that was read in part: the new template may
// read any member, so the data is read whole first, reporting nothing twice.
void RuntimeEngine::readWholeDataAgain()
{
    if (dataText_.empty() && extraDataText_.empty()) {
        return;
    }
    const std::string dataText = std::move(dataText_);
    const std::string extraDataText = std::move(extraDataText_);
    dataText_ = std::string();
    extraDataText_ = std::string();
    readData(dataText, extraDataText, nullptr, true);
}

}  // namespace Mero
