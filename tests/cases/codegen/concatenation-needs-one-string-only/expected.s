	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lf_B1:
	movq %rdi, -32(%rbp)
	movq %rsi, -24(%rbp)
	movq -32(%rbp), %rdi
	movq $5, %rsi
	call krel_concat@PLT
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -32(%rbp)
	movq -24(%rbp), %rdi
	movq -32(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -24(%rbp)
	jmp .Lf_return
.Lf_return:
	leave
	ret
	.size f, .-f

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
.Lmain_B1:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
