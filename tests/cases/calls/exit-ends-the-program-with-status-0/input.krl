void stop() {
    print("stopped\n");
    exit(3);
}

void main() {
    stop();
    print("never\n");
}
