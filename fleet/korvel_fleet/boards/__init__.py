"""Asks boards: their names, processes with ssh, and the stream of the job."""
