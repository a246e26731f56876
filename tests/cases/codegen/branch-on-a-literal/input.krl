void main() {
    if (!"x goto B9") {
    }
    if (!true) {
    }
    if (!5) {
    }
    if (!'q') {
    }
}
