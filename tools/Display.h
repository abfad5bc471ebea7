#pragma once

/// Lets a companion program do without a display, unless the environment names a platform itself.
/// To be called before the application object is made.
void useNoDisplay();
