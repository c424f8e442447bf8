// RuntimeEngine: one card's script runtime.
//
// It owns the variable tables, the data object, the function and event
// tables and the observers through which a change of a UI variable reaches the
// render properties bound to it; it also converts template sizes into Yoga
// values and holds the host services. The engine instance holds it through a
// shared pointer; everything that outlives one call holds it only weakly.
// Running script needs that shared owner: the engine hands out weak pointers
// to itself (make it with std::make_shared).
#pragma once

#include <yoga/Yoga.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "runtime/EventHandler.h"
#include "runtime/RuntimeServices.h"
#include "runtime/LocalScope.h"
#include "runtime/RuntimeObject.h"
#include "runtime/ScriptFactory.h"
#include "runtime/functions/MRFunction.h"
#include "value/JsonParser.h"
#include "value/Value.h"

namespace Mero {

class ParsedTemplate;

// What reading the data for one template left out of the data and of the
// extra data: kept to make the data whole should another template load.
struct DataLeftOut {
    JsonParser::LeftOut data;
    JsonParser::LeftOut extra;
    bool operator==(const DataLeftOut&) const = default;
};

// The callbacks registered under one UI-variable name. The engine holds them
// weakly: whoever bound the property (a render node) owns its callback, so
// a callback goes when its node goes. Entries of gone callbacks are dropped
// as the list grows, so a list never holds more than twice what is alive.
struct ObserverList {
    std::vector<std::weak_ptr<ObserverCallback>> callbacks;
    std::size_t compactAt = 8;
};

using ValueSetter = std::function<void(Value)>;
using BoolSetter = std::function<void(bool)>;
using DoubleSetter = std::function<void(double)>;
using YGValueSetter = std::function<void(YGValue)>;

class RuntimeEngine : public std::enable_shared_from_this<RuntimeEngine> {
public:
    RuntimeEngine();
    ~RuntimeEngine();
    RuntimeEngine(const RuntimeEngine&) = delete;
    RuntimeEngine& operator=(const RuntimeEngine&) = delete;

    // Parses the template and fills the tables (see TemplateLoader.cpp). The
    // function and event tables are not cleared first: on a second load the
    // earlier entries win where names collide. Global variables are reset.
    void loadTemplate(const char* text, std::size_t length);
    void loadTemplate(std::string_view text) { loadTemplate(text.data(), text.size()); }

    // Calls the named function with this engine; an unknown name gives null
    // without a report.
    Value invokeFunction(const std::string& name, ArgList&& args);

    // Insert without replacing: answer false (and drop the new entry) when
    // the name is already taken, by a function or, once the built-ins are
    // added, by a built-in.
    bool registerFunction(std::string name, MRFunctionPtr function);
    // From now on, built-ins answer every name that no function has taken.
    // They are shared by every card, not copied into its table.
    void addBuiltins() { builtinsAdded_ = true; }
    // The function a call of `name` reaches, or null.
    MRFunction* findFunction(const std::string& name) const;
    bool registerEvent(std::string name, EventHandlerPtr handler);
    // Removes the handler of `name`, whichever kind it is; false when there
    // is none.
    bool removeEvent(const std::string& name);

    using FunctionTable = std::unordered_map<std::string, MRFunctionPtr>;
    using EventTable = std::unordered_map<std::string, EventHandlerPtr>;
    using ObserverTable = std::unordered_map<std::string, std::shared_ptr<ObserverList>>;
    // The template's own functions (the built-ins are found by findFunction).
    const FunctionTable& functionTable() const { return functionTable_; }
    const EventTable& eventTable() const { return eventTable_; }
    // The re-evaluation callbacks registered per UI-variable name.
    const ObserverTable& observers() const { return observers_; }

    // Runs the handler registered under `name`, if any. `extra` (may be null)
    // is an outer scope whose members are copied in where the handler's scope
    // does not already have them; it is never changed.
    void dispatchEvent(const std::string& name, const Value& payload, const ObjectPtr& extra = nullptr);

    // Script has finished a piece of work whose effects the host must see:
    // calls the flush hook, which the owner of the card's views installs
    // (the instance flushes its render tree). Built-ins call it after every
    // deferred callback; without a hook it does nothing.
    void flush();
    void setFlushHook(std::function<void()> hook) { flushHook_ = std::move(hook); }

    // Registers `callback` under a UI-variable name, in registration order,
    // for as long as its owner keeps it.
    void addObserver(const std::string& name, const ObserverPtr& callback);
    // Calls every callback registered under `name`, in registration order.
    void notifyObservers(const std::string& name);

    // Template size (type, number) to a Yoga value / to a number.
    YGValue convertSize(int32_t sizeType, double number, YGValue fallback) const;
    double convertSizeToNumber(int32_t sizeType, double number, double base, double fallback) const;

    // Property binding, used by render nodes for every bound property:
    // evaluate now and call the setter; when the expression reads UI
    // variables, keep it and re-run evaluate-and-set on every change, for as
    // long as the caller keeps the callback handed back (null for an
    // expression that reads none). When the engine is already gone the
    // setter gets the default once.
    [[nodiscard]] static ObserverPtr getValueData(const LocalScope& scope, RuntimeObjectPtr expression, const EngineRef& engine,
                             std::shared_ptr<ValueSetter> setter, Value defaultValue);
    // The payload when the result is a boolean (number), else the default.
    [[nodiscard]] static ObserverPtr getTypeData(const LocalScope& scope, RuntimeObjectPtr expression,
                                                 const EngineRef& engine, std::shared_ptr<BoolSetter> setter,
                                                 bool defaultValue);
    [[nodiscard]] static ObserverPtr getTypeData(const LocalScope& scope, RuntimeObjectPtr expression,
                                                 const EngineRef& engine, std::shared_ptr<DoubleSetter> setter,
                                                 double defaultValue);
    // Through convertSizeToNumber with `base` and `fallback`.
    [[nodiscard]] static ObserverPtr getSizeData(const LocalScope& scope, SizeProperty property,
                                                 const EngineRef& engine, std::shared_ptr<DoubleSetter> setter,
                                                 double base, double fallback);
    // Through convertSize with `defaultValue` as the fallback.
    [[nodiscard]] static ObserverPtr getYGValueData(const LocalScope& scope, SizeProperty property,
                                                    const EngineRef& engine, std::shared_ptr<YGValueSetter> setter,
                                                    YGValue defaultValue);

    // The container's measure modes (Yoga numbering: 0 undefined, 1 exactly,
    // 2 at most) and size; a size is usable only when its mode is 1.
    int32_t widthMode = 0;
    int32_t heightMode = 0;
    float containerWidth = YGUndefined;
    float containerHeight = YGUndefined;
    // Scale of size type 4: screen width / 750.
    double screenScale = 1.0;

    ObjectPtr uiVariables;      // "uiRef"
    ObjectPtr globalVariables;  // "globalRef"
    ObjectPtr data;             // set by the host's data, never null; "$root" reads it whole

    // The element tree of the last template loaded, for building the card. A
    // card is built once, and its element tree is most of what its template
    // holds: after the first build releaseElements lets go of it (the cards
    // of one template share it, see ParsedTemplate) and keeps only the shared
    // text, from which a later build reads it again, reporting nothing twice,
    // and keeps it.
    const Value& elementsForBuild();
    void releaseElements();

    // The host's business data: `extraData`'s members join `data`'s without
    // replacing any. Large data for a card not yet built keeps only the
    // members that the template's data reads name; what it leaves out is
    // kept as text, and a later template gets the data whole.
    void setData(std::string_view dataText, std::string_view extraDataText, bool cardBuilt);

    RuntimeServices services;
    // Video-time points collected by script until it starts them; null until
    // the first one.
    VideoTimerListPtr pendingVideoTimers;

private:
    void readData(std::string_view dataText, std::string_view extraDataText, const JsonParser::KeySet* keep);
    void readWholeDataAgain();

    // The last template loaded: its reading until the card is built, its text
    // from then on.
    std::shared_ptr<const ParsedTemplate> template_;
    std::shared_ptr<const std::string> templateText_;
    bool elementsRebuilt_ = false;
    int templatesLoaded_ = 0;
    // While data members are left out, what was left out of the data and of
    // the extra data (null when nothing was), shared with the cards that left
    // out the same.
    std::shared_ptr<const DataLeftOut> dataLeftOut_;
    FunctionTable functionTable_;
    bool builtinsAdded_ = false;
    EventTable eventTable_;
    ObserverTable observers_;
    std::function<void()> flushHook_;
};

}  // namespace Mero
