#pragma once

/// Sizes of the window in device-independent pixels; spacing goes in steps of four.
namespace Metrics {

inline constexpr int kStep = 4;
inline constexpr int kSpace2 = 8;
inline constexpr int kSpace3 = 12;
inline constexpr int kSpace4 = 16;
inline constexpr int kSpace6 = 24;
inline constexpr int kHairline = 1;

inline constexpr int kRadiusSmall = 6;  ///< chips, thumbnails
inline constexpr int kRadius = 8;       ///< buttons, rows of the sidebar
inline constexpr int kRadiusLarge = 10; ///< covers, pictures

/// The parts of the window: fixed widths and heights; the lists take what is left.
inline constexpr int kSidebarWidth = 216;
inline constexpr int kSidebarCollapsedWidth = 60;
inline constexpr int kSidebarRowHeight = 34;
inline constexpr int kHeaderHeight = 64;
inline constexpr int kPlayerHeight = 88;
inline constexpr int kPlayerCover = 56;
inline constexpr int kPlayButton = 42;
inline constexpr int kKnob = 12; ///< of sliders
inline constexpr int kTapWidth = 52;
inline constexpr int kStatusHeight = 28;
inline constexpr int kProgressWidth = 160;
inline constexpr int kProgressThickness = 4;
inline constexpr int kFolderStripHeight = 34;

inline constexpr int kTableRowHeight = 52;  ///< times the density
inline constexpr int kTableRowMinimum = 40; ///< two lines of text have to fit
inline constexpr int kColumnHeadHeight = 34;
inline constexpr int kThumbnail = 36;
inline constexpr int kRowGutter = 44;         ///< left of the thumbnail, for the playing mark
inline constexpr int kRowWaveformWidth = 119; ///< forty bars
inline constexpr int kRowWaveformHeight = 26;
inline constexpr int kSelectionBar = 3;
inline constexpr int kChipHeight = 20;
inline constexpr int kFocusWidth = 2;

/// The grid of covers: the side of a cell before cells share what is left of the width, the gap to the next one,
/// title and artist below, and the ring of a selected one.
inline constexpr int kCoverCell = 180;
inline constexpr int kCoverGap = 18;
inline constexpr int kCoverCaption = 44;
inline constexpr int kCoverRing = 2;

/// Controls, wherever they stand.
inline constexpr int kButtonHeight = 32;
inline constexpr int kIcon = 18;
inline constexpr int kIconSmall = 14;
inline constexpr int kIconLarge = 40;
inline constexpr int kScrollBar = 10;
inline constexpr int kMenuRowHeight = 30;
/// Sheets and sentences: lines that can still be read at a glance.
inline constexpr int kBannerWidth = 440;
inline constexpr int kEmptyTextWidth = 440;

} // namespace Metrics
