// Loads the C++ runtime and does nothing: the floor of every start.
int main() {
    return 0;
}
