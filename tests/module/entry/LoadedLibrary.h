#pragma once

/// The module as a host has it: a library that is loaded, asked and unloaded at run time.
namespace loadedlibrary {

/// Loads the library, calls its initialisation and unloads it; false when one of these fails.
bool loadInitializeUnload();
/// Whether the library is in the process, without loading it.
bool isLoaded();

} // namespace loadedlibrary
