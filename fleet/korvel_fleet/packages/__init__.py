"""The packages of boards: the folder, the verdicts of korvel-report, results, and what is written about them."""
