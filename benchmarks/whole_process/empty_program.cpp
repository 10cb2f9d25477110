/// Linked to the same libraries as the tool, and does nothing: what a process costs before its first line.

int main() {}
