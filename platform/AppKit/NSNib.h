#pragma once

/// Views and their connections from an interface description: NAME.xib, an XML document.
///
///     <document><objects>
///       <customObject id="-2" customClass="Factory">
///         <connections><outlet property="view" destination="1"/></connections>
///       </customObject>
///       <customView id="1" customClass="Panel">
///         <rect key="frame" x="0" y="0" width="200" height="60"/>
///         <subviews>
///           <slider id="2"> <rect key="frame" .../>
///             <sliderCell key="cell" maxValue="10"/>
///             <connections><action selector="moved:" target="1"/></connections>
///           </slider>
///         </subviews>
///       </customView>
///     </objects></document>
///
/// - `id="-2"` is the owner, whose class must be its `customClass`.
/// - Frames are y-up inside their superview, and are converted once.
/// - An object is made by `initWithCoder`, which makes its cell; a view marked `initializer="frame"` gets its cell,
/// then
///   `initWithFrame`. A `customClass` on a view, a cell or a formatter replaces the class of the element.
/// - When all objects exist, the outlets are connected, then the actions, then each object is sent `awakeFromNib`; the
///   owner isn't.
/// - Texts come from the string table NAME where it has "ID.title", "ID.toolTip" or "ID.placeholderString". A cell
///   without an id of its own goes by that of its view.
/// - The objects belong to their superviews and to the outlets; what nobody holds is released.
///
/// Failure: a document that can't be read, or is no XML to its end, makes nothing. Anything else that is wrong in it is
/// written to the log as "FILE:LINE: what and which name", and the rest is loaded. So is each outlet of the owner and
/// of custom classes that is left unconnected.

#include "Foundation/NSBundle.h"

/// Loads NAME.xib from the bundle of the owner's class. @return false where nothing was made
bool NSLoadNibNamed(const NSString* name, NSObject* owner);

/// The same from a document in memory.
/// @param file    its path, for the messages; the string table has its name
/// @param bundle  where the string table is; null for none
bool NSLoadNibText(std::string_view xml, const std::string& file, const NSBundle* bundle, NSObject* owner);
