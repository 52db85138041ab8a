#pragma once

/// Fits the engine to the machine it runs on: without a graphics processor, and without its sandbox
/// where there can be none. Call before the first page is made.
void prepareEngine();
