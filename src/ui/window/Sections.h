#pragma once

#include "ui/sections/SectionDescriptor.h"

/// The table of the window's sections. A further section is one entry here, and the page parts that it names.
namespace Sections {

/// Lives as long as the program.
const SectionDescriptor& of(LibraryTab tab);

} // namespace Sections
