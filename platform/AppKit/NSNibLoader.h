#pragma once

/// Makes the objects of an interface description and connects them. For sources of this folder.

#include "AppKit/NSNibDocument.h"
#include "AppKit/NSNibElements.h"
#include "AppKit/NSView.h"
#include "Foundation/NSBundle.h"

#include <unordered_map>

class NSNibLoader {
public:
    NSNibLoader(const NSNibDocument& document, const NSBundle* bundle, NSObject* owner);

    void load();

    // --- for the coder

    /// The object that an element describes, made on first use; null where that is impossible, which is reported.
    RetainPtr<NSObject> objectFor(pugi::xml_node element);
    /// The frame of a view: y-down in its superview.
    NSRect frameOf(pugi::xml_node element);
    double numberOf(pugi::xml_node element, const char* attribute, double fallback) const;
    /// The attribute, or the text of the child of that key, in the user's language; null for none.
    RetainPtr<NSString> textOf(pugi::xml_node element, std::string_view key) const;
    pugi::xml_node childFor(pugi::xml_node element, std::string_view key) const;
    void report(pugi::xml_node where, const std::string& message) const { mDocument.report(where, message); }

private:
    struct Made {
        pugi::xml_node element;
        RetainPtr<NSObject> object;
    };

    // objects
    void makeOwner(pugi::xml_node element);
    RetainPtr<NSObject> make(pugi::xml_node element);
    RetainPtr<NSObject> makeFont(pugi::xml_node element) const;
    RetainPtr<NSObject> makeList(pugi::xml_node element);
    const NSClass* classOf(pugi::xml_node element, const NSNibElement& kind) const;
    bool initialise(NSObject& object, pugi::xml_node element);
    bool initialiseWithFrame(NSView& view, pugi::xml_node element);
    void addSubviews(NSView& view, pugi::xml_node element);
    void addSubview(NSView& view, pugi::xml_node element);
    void checkChildren(pugi::xml_node element, const NSNibElement& kind) const;
    void remember(pugi::xml_node element, NSObject* object);

    // connections
    void connectAll(std::string_view kind, void (NSNibLoader::*connect)(const Made&, pugi::xml_node));
    void connectOutlet(const Made& source, pugi::xml_node connection);
    void connectAction(const Made& source, pugi::xml_node connection);
    NSObject* objectWithId(pugi::xml_node connection, const char* attribute) const;
    void reportUnconnected() const;

    const NSNibDocument& mDocument;
    const NSBundle* mBundle;
    RetainPtr<NSString> mStrings;
    NSObject* mOwner;
    std::vector<Made> mMade;                                       // in the order of their birth; the owner first
    std::unordered_map<std::size_t, RetainPtr<NSObject>> mObjects; // by the element's hash
    std::unordered_map<std::string_view, RetainPtr<NSObject>> mObjectsById; // null for what stands for nothing here
    CGFloat mSuperviewHeight = -1; // of the view whose subviews are being made; below 0 for none
    int mDepth = 0;
};
