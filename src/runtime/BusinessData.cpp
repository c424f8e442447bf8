// The business data the host sets, and what of it a card keeps.
#include <cstddef>

#include "runtime/ParsedTemplate.h"
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
    const DataNames* names = nullptr;
    if (dataText.size() + extraDataText.size() >= kWholeDataBelow && templatesLoaded_ == 1 && !cardBuilt &&
        template_ && !template_->dataNames().all) {
        names = &template_->dataNames();
    }
    readData(dataText, extraDataText, names != nullptr ? &names->names : nullptr);
}

void RuntimeEngine::readData(std::string_view dataText, std::string_view extraDataText,
                             const JsonParser::KeySet* keep)
{
    JsonParser dataParser;
    JsonParser extraParser;
    dataParser.keepRootMembers(keep);
    extraParser.keepRootMembers(keep);
    dataParser.parse(dataText);
    extraParser.parse(extraDataText);
    // The reader's root is always an object; the data map is shared, not
    // copied. Extra data never replaces a key the data already has.
    data = dataParser.root().objectPtr();
    for (const auto& [key, value] : extraParser.root().object()) {
        data->try_emplace(key, value);
    }
    dataLeftOut_ = {};
    extraDataLeftOut_ = {};
    if (keep != nullptr) {
        JsonParser::LeftOut dataLeftOut = dataParser.leftOut();
        JsonParser::LeftOut extraDataLeftOut = extraParser.leftOut();
        if (!dataLeftOut.empty() || !extraDataLeftOut.empty()) {
            dataLeftOut_ = std::move(dataLeftOut);
            extraDataLeftOut_ = std::move(extraDataLeftOut);
        }
    }
}

// A template loaded after data that was read in part: the new template may
// read any member, so the data is made whole first, as a whole read would
// have made it, reporting nothing twice.
void RuntimeEngine::readWholeDataAgain()
{
    if (dataLeftOut_.empty() && extraDataLeftOut_.empty()) {
        return;
    }
    auto whole = std::make_shared<ValueObject>();
    JsonParser::restoreRoot(*data, dataLeftOut_, *whole);
    JsonParser::restoreRoot(*data, extraDataLeftOut_, *whole);
    data = std::move(whole);
    dataLeftOut_ = {};
    extraDataLeftOut_ = {};
}

}  // namespace Mero
