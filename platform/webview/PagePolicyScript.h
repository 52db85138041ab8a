#pragma once

#include <QString>

struct WebPagePolicy;

/// The script that holds a page to its policy, run in a world of its own before anything of the
/// page, so that the page cannot undo it.
QString pagePolicyScript(const WebPagePolicy &policy);
