void f() {
    main();
}
