	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movq $0, %r11
	leaq -16(%rbp), %r10
	movsd %xmm0, (%r10,%r11,8)
	movq $1, %rax
	xorq %rcx, %rcx
	testq %rax, %rax
	setne %al
	movzbq %al, %rax
	testq %rcx, %rcx
	setne %cl
	movzbq %cl, %rcx
	andq %rcx, %rax
	movq %rax, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movq $0, %r11
	leaq -24(%rbp), %r10
	movsd %xmm0, (%r10,%r11,8)
	leaq .LC0(%rip), %rax
	movq $0, %r11
	leaq -32(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movq $1, %rax
	movq $0, %r11
	leaq -40(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "s"
.LCD0:
	.double 1.5
	.section .note.GNU-stack,"",@progbits
