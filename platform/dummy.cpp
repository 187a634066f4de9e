// Keeps the backend libraries non-empty while they grow.
