/// Links the same libraries as the tool and does nothing: the cost of a process before its first line.

int main() {}
