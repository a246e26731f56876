void ifs(int x) {
    if (+x) {
        print("+x ");
    }
    if (-x) {
        print("-x ");
    }
    if (!x) {
        print("!x ");
    }
    if (!+x) {
        print("!+x ");
    }
    if (+!x) {
        print("+!x ");
    }
    if (!-x) {
        print("!-x ");
    }
    if (-!x) {
        print("-!x ");
    }
    if (!!x) {
        print("!!x ");
    }
    if (+-x) {
        print("+-x ");
    }
}

void elseifs(int x) {
    if (false) {
    } elseif (+x) {
        print("+x ");
    }
    if (false) {
    } elseif (-x) {
        print("-x ");
    }
    if (false) {
    } elseif (!x) {
        print("!x ");
    }
    if (false) {
    } elseif (!+x) {
        print("!+x ");
    }
    if (false) {
    } elseif (+!x) {
        print("+!x ");
    }
    if (false) {
    } elseif (!-x) {
        print("!-x ");
    }
    if (false) {
    } elseif (-!x) {
        print("-!x ");
    }
    if (false) {
    } elseif (!!x) {
        print("!!x ");
    }
    if (false) {
    } elseif (+-x) {
        print("+-x ");
    }
}

void whiles(int x) {
    while (+x) {
        print("+x ");
        break;
    }
    while (-x) {
        print("-x ");
        break;
    }
    while (!x) {
        print("!x ");
        break;
    }
    while (!+x) {
        print("!+x ");
        break;
    }
    while (+!x) {
        print("+!x ");
        break;
    }
    while (!-x) {
        print("!-x ");
        break;
    }
    while (-!x) {
        print("-!x ");
        break;
    }
    while (!!x) {
        print("!!x ");
        break;
    }
    while (+-x) {
        print("+-x ");
        break;
    }
}

void fors(int x) {
    for (; +x; ) {
        print("+x ");
        break;
    }
    for (; -x; ) {
        print("-x ");
        break;
    }
    for (; !x; ) {
        print("!x ");
        break;
    }
    for (; !+x; ) {
        print("!+x ");
        break;
    }
    for (; +!x; ) {
        print("+!x ");
        break;
    }
    for (; !-x; ) {
        print("!-x ");
        break;
    }
    for (; -!x; ) {
        print("-!x ");
        break;
    }
    for (; !!x; ) {
        print("!!x ");
        break;
    }
    for (; +-x; ) {
        print("+-x ");
        break;
    }
}

void main() {
    ifs(0);
    print("\n");
    elseifs(0);
    print("\n");
    whiles(0);
    print("\n");
    fors(0);
    print("\n");
    ifs(3);
    print("\n");
    elseifs(3);
    print("\n");
    whiles(3);
    print("\n");
    fors(3);
    print("\n");
}
