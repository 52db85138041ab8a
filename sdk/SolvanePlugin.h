#pragma once

/// Everything a plugin needs of Solvane, in one include.

#include "platform/foundation/Dictionary.h"
#include "platform/foundation/Selector.h"
#include "platform/ui/Drawer.h"
#include "platform/ui/FillsParent.h"
#include "plugin_host/mndCore.h"
#include "plugin_host/mndPlugin.h"
#include "plugin_host/mndTheme.h"
