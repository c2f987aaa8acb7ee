"""korvel-fleet: asks many boards at once."""

VERSION = "@PROJECT_VERSION@"
