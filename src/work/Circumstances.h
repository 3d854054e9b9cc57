#pragma once

/// What else goes on while work is done in the background. Those who know tell the Scheduler at the moment it changes.
struct Circumstances {
    bool isPlaying = false;     ///< the player plays
    bool isScrolling = false;   ///< the playlist is in motion
    bool isReadingTags = false; ///< tags are being read, or wait to be applied
    bool isConstrained = false; ///< power is low or the machine is hot

    bool operator==(const Circumstances&) const = default;
};
