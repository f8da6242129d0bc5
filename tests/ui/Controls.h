#pragma once

/// Where the editor's controls are, as `tonaro --controls` tells.

#include "CoreGraphics/CGGeometry.h"

#include <string>
#include <vector>

struct Control {
    std::string outlet;
    CGRect frame; ///< points from the window's top left
    bool enabled = false;
    std::vector<std::string> items;
};

class Controls {
public:
    /// Of an editor with these options ("--set=gain=-6"). @throw std::runtime_error when the list can't be read
    explicit Controls(const std::vector<std::string>& options = {});

    /// @throw std::runtime_error that names the outlet when there is none
    const Control& operator[](const std::string& outlet) const;
    const std::vector<Control>& all() const { return mControls; } ///< in Tab order

private:
    std::vector<Control> mControls;
};
