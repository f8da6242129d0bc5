#include "AppKit/NSNibLoader.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSControl.h"
#include "AppKit/NSNibCoder.h"
#include "Foundation/NSArray.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>

namespace {

constexpr int kDeepest = 64;
constexpr double kLargestLength = 32767; ///< points; what a bitmap can hold

// Elements without a key that any object may have.
constexpr std::string_view kPlainChildren[] = {"subviews", "connections", "items", "autoresizingMask"};
// Elements with a key that are values of their object.
constexpr std::string_view kKeyedChildren[] = {"rect", "string", "font", "autoresizingMask"};
constexpr std::string_view kLocalisedKeys[] = {"title", "toolTip", "placeholderString"};

template <std::size_t Count> bool Has(const std::string_view (&list)[Count], std::string_view name)
{
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

std::string Quoted(std::string_view name) { return "“" + std::string(name) + "”"; }

} // namespace

NSNibLoader::NSNibLoader(const NSNibDocument& document, const NSBundle* bundle, NSObject* owner)
    : mDocument(document),
      mBundle(bundle),
      mStrings(NSString::string(std::filesystem::path(document.file()).stem().string())),
      mOwner(owner)
{
}

void NSNibLoader::load()
{
    mObjectsById = {{"-1", nullptr}, {"-3", nullptr}};
    const pugi::xml_node objects = mDocument.objects();
    makeOwner(objects.find_child_by_attribute("id", "-2"));
    for (const pugi::xml_node element : objects.children()) {
        const std::string_view id = element.attribute("id").value();
        if (element.type() == pugi::node_element && id != "-1" && id != "-2" && id != "-3") objectFor(element);
    }
    connectAll("outlet", &NSNibLoader::connectOutlet);
    connectAll("action", &NSNibLoader::connectAction);
    reportUnconnected();
    const std::vector<Made> made = mMade; // an object may load another description
    for (const Made& each : made)
        if (each.object != mOwner) each.object->awakeFromNib();
}

void NSNibLoader::makeOwner(pugi::xml_node element)
{
    if (!mOwner) return;
    mMade.push_back({element, mOwner});
    mObjectsById["-2"] = mOwner;
    const std::string_view name = element.attribute("customClass").value();
    const NSClass* const wanted = NSClassFromString(name);
    if (!name.empty() && !wanted) report(element, "unknown class " + Quoted(name));
    if (wanted && !mOwner->classTable().isSubclassOf(*wanted))
        report(element, "the owner is a " + std::string(mOwner->classTable().name) + ", not a " + wanted->name);
}

// --- objects

RetainPtr<NSObject> NSNibLoader::objectFor(pugi::xml_node element)
{
    const auto [place, isNew] = mObjects.try_emplace(element.hash_value());
    if (!isNew) return place->second;
    if (mDepth >= kDeepest) {
        report(element, "elements lie deeper than " + std::to_string(kDeepest));
        return nullptr;
    }
    ++mDepth;
    RetainPtr<NSObject> object = make(element);
    --mDepth;
    mObjects[element.hash_value()] = object;
    return object;
}

RetainPtr<NSObject> NSNibLoader::make(pugi::xml_node element)
{
    const std::string_view name = element.name();
    if (name == "font") return makeFont(element);
    if (name == "items") return makeList(element);
    const NSNibElement* const kind = NSNibElementNamed(name);
    if (!kind) {
        report(element, "unknown element " + Quoted(name));
        return nullptr;
    }
    checkChildren(element, *kind);
    const NSClass* const table = classOf(element, *kind);
    RetainPtr<NSObject> object = table && table->alloc ? table->alloc() : nullptr;
    if (!object || !initialise(*object, element)) {
        report(element, "can't make " + Quoted(name));
        return nullptr;
    }
    remember(element, object);
    if (auto* view = asKind<NSView>(object.get())) addSubviews(*view, element);
    return object;
}

/// The custom class where one is given that fits, else the element's.
const NSClass* NSNibLoader::classOf(pugi::xml_node element, const NSNibElement& kind) const
{
    const NSClass& standard = kind.classTable();
    const std::string_view name = element.attribute("customClass").value();
    if (name.empty()) return &standard;
    const NSClass* const custom = NSClassFromString(name);
    if (!custom) {
        report(element, "unknown class " + Quoted(name));
        return &standard;
    }
    if (custom->isSubclassOf(standard)) return custom;
    report(element, "the class " + Quoted(name) + " is no " + standard.name);
    return &standard;
}

bool NSNibLoader::initialise(NSObject& object, pugi::xml_node element)
{
    auto* const view = asKind<NSView>(&object);
    if (view && element.attribute("initializer").value() == std::string_view("frame"))
        return initialiseWithFrame(*view, element);
    NSNibCoder coder(*this, element);
    return object.initWithCoder(coder);
}

bool NSNibLoader::initialiseWithFrame(NSView& view, pugi::xml_node element)
{
    NSNibCoder coder(*this, element);
    if (auto* control = asKind<NSControl>(&view))
        control->setCell(asKind<NSCell>(coder.decodeObjectForKey("cell").get()));
    if (!view.initWithFrame(frameOf(element))) return false;
    view.setHidden(coder.decodeBoolForKey("hidden", false));
    view.setToolTip(coder.decodeStringForKey("toolTip").get());
    return true;
}

void NSNibLoader::addSubviews(NSView& view, pugi::xml_node element)
{
    const CGFloat outer = std::exchange(mSuperviewHeight, view.frame().size.height);
    if (const pugi::xml_node content = childFor(element, "contentView")) addSubview(view, content);
    for (const pugi::xml_node child : element.child("subviews").children())
        if (child.type() == pugi::node_element) addSubview(view, child);
    mSuperviewHeight = outer;
}

void NSNibLoader::addSubview(NSView& view, pugi::xml_node element)
{
    const RetainPtr<NSObject> object = objectFor(element);
    auto* const subview = asKind<NSView>(object.get());
    if (object && !subview) report(element, Quoted(element.name()) + " is no view");
    view.addSubview(subview);
}

RetainPtr<NSObject> NSNibLoader::makeFont(pugi::xml_node element) const
{
    static constexpr struct {
        std::string_view metaFont;
        const char* name;
        CGFloat size;
    } kRows[] = {
        {"system", "Lucida Grande", NSMetrics::systemFontSize},
        {"systemBold", "Lucida Grande-Bold", NSMetrics::systemFontSize},
        {"smallSystem", "Lucida Grande", NSMetrics::smallSystemFontSize},
        {"smallSystemBold", "Lucida Grande-Bold", NSMetrics::smallSystemFontSize},
    };
    const pugi::xml_attribute meta = element.attribute("metaFont"), name = element.attribute("name");
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const auto& each) { return each.metaFont == meta.value(); });
    const bool isKnown = row != std::end(kRows);
    if (meta && !isKnown) report(element, "unknown font " + Quoted(meta.value()));
    const char* const wanted = name ? name.value() : isKnown ? row->name : kRows[0].name;
    return CTFontCreateWithName(NSString::string(wanted).get(),
                                numberOf(element, "size", isKnown ? row->size : kRows[0].size));
}

RetainPtr<NSObject> NSNibLoader::makeList(pugi::xml_node element)
{
    std::vector<RetainPtr<NSObject>> objects;
    for (const pugi::xml_node child : element.children())
        if (child.type() == pugi::node_element)
            if (auto object = objectFor(child)) objects.push_back(std::move(object));
    return NSArray::array(std::move(objects));
}

void NSNibLoader::checkChildren(pugi::xml_node element, const NSNibElement& kind) const
{
    for (const pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element) continue;
        const std::string_view name = child.name(), key = child.attribute("key").value();
        const bool isKnown =
            key.empty() ? Has(kPlainChildren, name) : Has(kKeyedChildren, name) || NSNibElementNamed(name);
        if (!isKnown) report(child, "unknown element " + Quoted(name));
        if (isKnown && key == "cell" && (!kind.cell || name != kind.cell))
            report(child, Quoted(name) + " is no cell of a " + Quoted(element.name()));
    }
}

void NSNibLoader::remember(pugi::xml_node element, NSObject* object)
{
    mMade.push_back({element, object});
    const std::string_view id = element.attribute("id").value();
    if (id.empty()) return;
    if (!mObjectsById.try_emplace(id, object).second) report(element, "the id " + Quoted(id) + " is used twice");
}

// --- values

/// The child of that key; a cell of the wrong kind isn't one. "items" stands without a key.
pugi::xml_node NSNibLoader::childFor(pugi::xml_node element, std::string_view key) const
{
    for (const pugi::xml_node child : element.children()) {
        const pugi::xml_attribute given = child.attribute("key");
        if ((given ? std::string_view(given.value()) : std::string_view(child.name())) != key) continue;
        const NSNibElement* const kind = key == "cell" ? NSNibElementNamed(element.name()) : nullptr;
        if (kind && (!kind->cell || child.name() != std::string_view(kind->cell))) continue;
        if (child.name() == std::string_view("font") || child.name() == std::string_view("items") ||
            child.name() == std::string_view("string") || child.name() == std::string_view("rect") ||
            NSNibElementNamed(child.name()))
            return child;
    }
    return {};
}

double NSNibLoader::numberOf(pugi::xml_node element, const char* name, double fallback) const
{
    const pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute) return fallback;
    const std::string_view text = attribute.value();
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size() && std::isfinite(value)) return value;
    report(element, Quoted(text) + " in " + Quoted(name) + " is no number");
    return fallback;
}

NSRect NSNibLoader::frameOf(pugi::xml_node element)
{
    const pugi::xml_node rect = element.find_child_by_attribute("rect", "key", "frame");
    if (!rect) {
        report(element, Quoted(element.name()) + " has no frame");
        return {};
    }
    const auto length = [&](const char* name, double least) {
        const double value = numberOf(rect, name, 0);
        if (value >= least && value <= kLargestLength) return value;
        report(rect, Quoted(rect.attribute(name).value()) + " in " + Quoted(name) + " is out of range");
        return 0.0;
    };
    const NSSize size = {length("width", 0), length("height", 0)};
    const CGFloat x = length("x", -kLargestLength), y = length("y", -kLargestLength);
    return {{x, mSuperviewHeight < 0 ? y : mSuperviewHeight - y - size.height}, size};
}

RetainPtr<NSString> NSNibLoader::textOf(pugi::xml_node element, std::string_view key) const
{
    const pugi::xml_attribute attribute = element.attribute(std::string(key).c_str());
    const pugi::xml_node child = childFor(element, key);
    RetainPtr<NSString> text;
    if (attribute || child) text = NSString::string(attribute ? attribute.value() : child.text().get());
    if (!mBundle || !Has(kLocalisedKeys, key)) return text;
    // a cell goes by the id of its view
    const pugi::xml_attribute own = element.attribute("id");
    const std::string id = own ? own.value() : element.parent().attribute("id").value();
    const auto entry = NSString::string(id + "." + std::string(key));
    const auto translated = mBundle->localizedStringForKey(entry, text, mStrings);
    return translated->isEqualToString(entry) ? text : translated; // the key itself: neither text nor translation
}
