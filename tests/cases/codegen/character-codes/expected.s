	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movq $65, %rax
	movq %rax, -16(%rbp)
	movq $10, %rax
	movq %rax, -16(%rbp)
	movq $116, %rax
	movq %rax, -16(%rbp)
	movq $114, %rax
	movq %rax, -16(%rbp)
	movq $92, %rax
	movq %rax, -16(%rbp)
	movq $39, %rax
	movq %rax, -16(%rbp)
	movq $48, %rax
	movq %rax, -16(%rbp)
	movq $32, %rax
	movq %rax, -16(%rbp)
	movq $8, %rax
	movq %rax, -16(%rbp)
	movq $12, %rax
	movq %rax, -16(%rbp)
	movq $0, %rax
	movq %rax, -16(%rbp)
	movq $0, %rax
	movq %rax, -16(%rbp)
	movq $126, %rax
	movq %rax, -16(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
