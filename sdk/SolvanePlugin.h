#pragma once

/// Everything a plugin needs of Solvane, in one include.

#include "helpers/HelperProtocols.h"
#include "helpers/mndHelpers.h"
#include "platform/foundation/Date.h"
#include "platform/foundation/Dictionary.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/FileRecord.h"
#include "platform/foundation/Selector.h"
#include "platform/foundation/StringArray.h"
#include "platform/ui/AttributedString.h"
#include "platform/ui/AttributedStringDelegate.h"
#include "platform/ui/Drawer.h"
#include "platform/ui/FillsParent.h"
#include "platform/ui/Mnemonics.h"
#include "platform/ui/TableViewDataSource.h"
#include "platform/ui/TableViewModel.h"
#include "plugin_host/mndCore.h"
#include "plugin_host/mndLoadReports.h"
#include "plugin_host/mndPlugin.h"
#include "plugin_host/mndTheme.h"
#include "plugin_host/mndWorkspace.h"
