	.text
