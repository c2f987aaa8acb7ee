"""The subcommands."""
