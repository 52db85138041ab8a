#pragma once

/// Makes the host's compiled interface files known by name. Call once, in main().
void addInterfaceFiles();
