#pragma once

#include <string>

/// The text of --help, from the tables that the command line is read by. Lines have at most 80 columns.
std::string helpText();
