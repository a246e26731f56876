void main() {
]
]
@
x;
}
}
