#pragma once

/// Makes the helper classes known to ClassRegistry, by their own names. Harmless twice. Any thread.
void registerHelperClasses();
