// Keeps the UI library non-empty until the framework lands.
