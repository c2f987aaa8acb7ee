#pragma once

/// Whether the board runs in a secure environment. A board that cannot tell counts as secured.
bool isBoardSecured();
