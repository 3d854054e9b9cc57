#pragma once

class CommandCenter;
class LibraryStore;

/// What commands on rows do: calls of the store's concerns.
namespace StoreCommands {

/// Binds every command that the store alone can do. \param library outlives the commands.
void bind(CommandCenter& commands, LibraryStore& library);

} // namespace StoreCommands
