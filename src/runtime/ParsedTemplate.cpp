#include "runtime/ParsedTemplate.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "value/JsonParser.h"
#include "value/TextHash.h"
#include "value/WeakTable.h"

namespace Mero {

namespace {

// The recently loaded templates kept for the next card even when no card
// holds them: at most this many, and at most this much text between them
// (a tree takes several times its text).
constexpr std::size_t kRecentTemplates = 8;
constexpr std::size_t kRecentTextBytes = 256 * 1024;

// Readings by the hash of their text. Cards load templates from any thread,
// so every use holds the mutex; the reading itself happens outside it.
class TemplateCache {
public:
    ParsedTemplatePtr find(std::string_view text, std::size_t hash)
    {
        // Whatever the lookup was last to hold is freed after the unlock:
        // these are declared before the lock.
        std::vector<ParsedTemplatePtr> looked;
        std::vector<ParsedTemplatePtr> dropped;
        std::lock_guard lock(mutex_);
        ParsedTemplatePtr found = byText_.find(
            hash, [text](const ParsedTemplate& parsed) { return *parsed.text() == text; }, looked);
        if (found) {
            dropped = keepRecent(found);
        }
        return found;
    }

    void add(const ParsedTemplatePtr& parsed, std::size_t hash)
    {
        std::vector<ParsedTemplatePtr> dropped;
        {
            std::lock_guard lock(mutex_);
            byText_.add(hash, parsed);
            dropped = keepRecent(parsed);
        }
        // Templates that no card holds any more are freed here, unlocked.
    }

    void forgetRecent()
    {
        std::vector<ParsedTemplatePtr> dropped;
        std::lock_guard lock(mutex_);
        dropped.swap(recent_);
        recentBytes_ = 0;
        byText_.dropExpired();
        // `dropped` is freed after the unlock: it is declared first.
    }

    std::size_t sharedCount()
    {
        std::lock_guard lock(mutex_);
        return byText_.liveCount();
    }

private:
    // Moves `parsed` to the front of the recent ones; hands back those that
    // no longer fit, for the caller to free outside the lock.
    std::vector<ParsedTemplatePtr> keepRecent(const ParsedTemplatePtr& parsed)
    {
        std::vector<ParsedTemplatePtr> dropped;
        for (auto it = recent_.begin(); it != recent_.end(); ++it) {
            if (*it == parsed) {
                std::rotate(recent_.begin(), it, it + 1);
                return dropped;
            }
        }
        const std::size_t bytes = parsed->text()->size();
        if (bytes > kRecentTextBytes) {
            return dropped;  // shared while cards hold it, never kept
        }
        recent_.insert(recent_.begin(), parsed);
        recentBytes_ += bytes;
        while (recent_.size() > kRecentTemplates || recentBytes_ > kRecentTextBytes) {
            recentBytes_ -= recent_.back()->text()->size();
            dropped.push_back(std::move(recent_.back()));
            recent_.pop_back();
        }
        return dropped;
    }

    std::mutex mutex_;
    WeakTable<ParsedTemplate> byText_;
    // The most recent first; a handful, so a vector (an empty deque still
    // allocates, and every reading made two).
    std::vector<ParsedTemplatePtr> recent_;
    std::size_t recentBytes_ = 0;
};

TemplateCache& cache()
{
    // Never destroyed: cards freed while the process exits may still reach it.
    static auto* theCache = new TemplateCache();
    return *theCache;
}

}  // namespace

ParsedTemplate::ParsedTemplate(std::shared_ptr<const std::string> text, Value root)
    : text_(std::move(text)),
      root_(std::move(root)),
      elements_(memberOf(root_, "elements")),
      variables_(memberOf(root_, "variables"))
{
}

const DataNames& ParsedTemplate::dataNames() const
{
    std::call_once(dataNamesFound_, [this] { dataNames_.addReadsIn(root_); });
    return dataNames_;
}

std::shared_ptr<const TemplateScript> ParsedTemplate::script() const
{
    std::call_once(scriptBuilt_, [this] { script_ = buildSharedScript(root_); });
    return script_;
}

ParsedTemplatePtr ParsedTemplate::read(std::string_view text, Reports reports)
{
    const std::size_t hash = sampledHash(text);
    if (ParsedTemplatePtr found = cache().find(text, hash)) {
        return found;
    }
    auto ownText = std::make_shared<const std::string>(text);
    JsonParser parser;
    // Nothing changes a template's Values in place: every card of it shares them.
    parser.shareRepeatedObjects();
    if (reports == Reports::Quiet) {
        parser.setQuiet();
    }
    parser.parse(*ownText);
    auto parsed = std::make_shared<const ParsedTemplate>(std::move(ownText), std::move(parser.root()));
    if (!parser.reported()) {
        cache().add(parsed, hash);
    }
    return parsed;
}

void ParsedTemplate::forgetRecent()
{
    cache().forgetRecent();
}

std::size_t ParsedTemplate::sharedCount()
{
    return cache().sharedCount();
}

}  // namespace Mero
