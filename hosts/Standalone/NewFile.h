#pragma once

/// A file that appears under its name only when it is whole.
///
/// What is written goes into a hidden file beside it, which takes the name in `keep`, and the rights of the file that
/// was there before. Without `keep` it vanishes, and what was there before stays. A device or a pipe under that name is
/// written to as it is.
///
/// Failure: InputError "NAME: why".

#include <string>

class NewFile {
public:
    explicit NewFile(const std::string& name);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int descriptor() const { return mDescriptor; } ///< to write to and to seek in; closed by this object
    void keep();

private:
    void openTemporary();

    std::string mName;      ///< as it was given, for messages
    std::string mPath;      ///< with links followed
    std::string mTemporary; ///< empty for a device, and once kept
    int mDescriptor = -1;
};
