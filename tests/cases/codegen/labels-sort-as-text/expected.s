	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	leaq .LC0(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC1(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC2(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC3(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC4(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC5(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC6(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC7(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC8(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC9(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC10(%rip), %rax
	movq %rax, -16(%rbp)
	leaq .LC11(%rip), %rax
	movq %rax, -16(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD1(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD2(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD3(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD4(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD5(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD6(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD7(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD8(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD9(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD10(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "s0"
.LC1:
	.string "s1"
.LC10:
	.string "s10"
.LC11:
	.string "s11"
.LC2:
	.string "s2"
.LC3:
	.string "s3"
.LC4:
	.string "s4"
.LC5:
	.string "s5"
.LC6:
	.string "s6"
.LC7:
	.string "s7"
.LC8:
	.string "s8"
.LC9:
	.string "s9"
.LCD0:
	.double 0.5
.LCD1:
	.double 1.5
.LCD10:
	.double 10.5
.LCD2:
	.double 2.5
.LCD3:
	.double 3.5
.LCD4:
	.double 4.5
.LCD5:
	.double 5.5
.LCD6:
	.double 6.5
.LCD7:
	.double 7.5
.LCD8:
	.double 8.5
.LCD9:
	.double 9.5
	.section .note.GNU-stack,"",@progbits
