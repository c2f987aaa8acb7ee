#pragma once

/// From a library that the board's libraries need and korvel does not link.
const char* boardText();
