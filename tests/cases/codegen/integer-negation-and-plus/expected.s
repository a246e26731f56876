	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movq $5, %rax
	negq %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	negq %rax
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	negq %rax
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -40(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
