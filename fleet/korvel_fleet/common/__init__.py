"""What all modules use: errors, texts, the time."""
