	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lmain_B1:
	movq $1, %r11
	leaq -24(%rbp), %r10
	movq (%r10,%r11,8), %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq $0, %r11
	leaq -24(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
