// The business data the host sets, and what of it a card keeps.
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "runtime/ParsedTemplate.h"
#include "runtime/RuntimeEngine.h"
#include "value/TextHash.h"
#include "value/WeakTable.h"

namespace Mero {

namespace {

// Below this, data is read whole: leaving members out pays only for texts
// that take long to read and hold much once read (a feed's whole payload
// handed to each of its cards).
constexpr std::size_t kWholeDataBelow = 4096;

using DataLeftOutPtr = std::shared_ptr<const DataLeftOut>;

// The cards of a feed are often handed the same payload, and each would keep
// the same text left unread: what is left out is kept once and shared by the
// cards that left it out. Cards set data from any thread; the table only
// finds what live cards hold.
class SharedLeftOuts {
public:
    DataLeftOutPtr share(DataLeftOut leftOut)
    {
        const std::size_t hash = sampledHash(leftOut.data.text) * 31 + sampledHash(leftOut.extra.text);
        // Whatever was looked at is let go after the unlock: declared first.
        std::vector<DataLeftOutPtr> looked;
        std::lock_guard lock(mutex_);
        if (DataLeftOutPtr held = byText_.find(
                hash, [&](const DataLeftOut& other) { return other == leftOut; }, looked)) {
            return held;
        }
        auto made = std::make_shared<const DataLeftOut>(std::move(leftOut));
        byText_.add(hash, made);
        return made;
    }

private:
    std::mutex mutex_;
    WeakTable<DataLeftOut> byText_;
};

DataLeftOutPtr shareLeftOut(DataLeftOut leftOut)
{
    // Never destroyed: cards freed while the process exits may still reach it.
    static auto* table = new SharedLeftOuts();
    return table->share(std::move(leftOut));
}

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
    dataLeftOut_ = nullptr;
    if (keep != nullptr) {
        DataLeftOut leftOut{dataParser.leftOut(), extraParser.leftOut()};
        if (!leftOut.data.empty() || !leftOut.extra.empty()) {
            dataLeftOut_ = shareLeftOut(std::move(leftOut));
        }
    }
}

// A template loaded after data that was read in part: the new template may
// read any member, so the data is made whole first, as a whole read would
// have made it, reporting nothing twice.
void RuntimeEngine::readWholeDataAgain()
{
    if (!dataLeftOut_) {
        return;
    }
    auto whole = std::make_shared<ValueObject>();
    JsonParser::restoreRoot(*data, dataLeftOut_->data, *whole);
    JsonParser::restoreRoot(*data, dataLeftOut_->extra, *whole);
    data = std::move(whole);
    dataLeftOut_ = nullptr;
}

}  // namespace Mero
