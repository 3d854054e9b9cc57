#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"

/// What a section is to the store: one entry of one table. How it looks is a matter of the window.
struct LibrarySection {
    LibraryTab tab;
    /// See rawValue() of LibraryTab. On disk, never change.
    QString rawValue;
    /// The list that has its rows.
    Track::MetadataDestination list = Track::MetadataDestination::Library;
    /// Which rows of the list stand in the section.
    bool (*holds)(const Track& track) = [](const Track&) { return true; };
    bool holdsJobs = false;     ///< its rows are jobs of conversion, made from rows of the list
    bool ownsSelection = false; ///< its selection is not that of the workspace
    bool isSortable = false;
    bool isFiltered = false; ///< a filter by genre narrows it
    bool takesOgg = false;   ///< Ogg files are taken as well

    /// Whether the rows are tracks of the main list, which tags may be assigned to.
    bool holdsLibraryTracks() const { return list == Track::MetadataDestination::Library && !holdsJobs; }

    /// The entry of a section; it lives as long as the program.
    static const LibrarySection& of(LibraryTab tab);
};
