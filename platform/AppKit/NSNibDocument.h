#pragma once

/// The text of an interface description and what is said about it. For sources of this folder.

#include <pugixml.hpp>
#include <string>
#include <string_view>

class NSNibDocument {
public:
    NSNibDocument(std::string_view xml, std::string file) : mText(xml), mFile(std::move(file)) {}

    bool parse(); ///< reports what is wrong with the XML
    pugi::xml_node objects() const { return mDocument.child("document").child("objects"); }
    const std::string& file() const { return mFile; }

    /// Writes "FILE:LINE: message" to the log, with the line of `where`.
    void report(pugi::xml_node where, const std::string& message) const;

private:
    void reportAt(std::ptrdiff_t offset, const std::string& message) const;

    std::string_view mText;
    std::string mFile;
    pugi::xml_document mDocument;
};
