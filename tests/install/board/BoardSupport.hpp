#pragma once

/// Part of a library that the board's libraries need and programs do not know.
const char* boardText();
