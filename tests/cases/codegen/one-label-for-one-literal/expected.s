	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
.Lf_B1:
	leaq .LC0(%rip), %rax
	jmp .Lf_return
.Lf_return:
	leave
	ret
	.size f, .-f

	.globl g
	.type g, @function
g:
	pushq %rbp
	movq %rsp, %rbp
.Lg_B1:
	movsd .LCD0(%rip), %xmm0
	jmp .Lg_return
.Lg_return:
	leave
	ret
	.size g, .-g

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $64, %rsp
.Lmain_B1:
	leaq .LC1(%rip), %rax
	movq %rax, -8(%rbp)
	leaq .LC0(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC2(%rip), %rax
	movq %rax, -24(%rbp)
	leaq .LC2(%rip), %rax
	movq %rax, -32(%rbp)
	leaq .LC3(%rip), %rax
	movq %rax, -40(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd .LCD1(%rip), %xmm0
	movsd %xmm0, -56(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "same"
.LC1:
	.string "other"
.LC2:
	.string "a\\tb"
.LC3:
	.string "a\\\\tb"
.LCD0:
	.double 0.5
.LCD1:
	.double 1.5
	.section .note.GNU-stack,"",@progbits
