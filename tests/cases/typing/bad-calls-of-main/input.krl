void f() {
    main();
    main(nothing);
}

void main() {
    main();
    print(main());
}
