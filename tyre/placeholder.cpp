// Keeps the tyre library non-empty until the model lands.
