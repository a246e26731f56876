	.text

	.globl number
	.type number, @function
number:
	pushq %rbp
	movq %rsp, %rbp
.Lnumber_B1:
	movq $7, %rax
	jmp .Lnumber_return
.Lnumber_return:
	leave
	ret
	.size number, .-number

	.globl real
	.type real, @function
real:
	pushq %rbp
	movq %rsp, %rbp
.Lreal_B1:
	movsd .LCD0(%rip), %xmm0
	jmp .Lreal_return
.Lreal_return:
	leave
	ret
	.size real, .-real

	.globl yes
	.type yes, @function
yes:
	pushq %rbp
	movq %rsp, %rbp
.Lyes_B1:
	movq $1, %rax
	jmp .Lyes_return
.Lyes_return:
	leave
	ret
	.size yes, .-yes

	.globl letter
	.type letter, @function
letter:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lletter_B1:
	movq $99, %rax
	jmp .Lletter_return
.Lletter_return:
	leave
	ret
	.size letter, .-letter

	.globl text
	.type text, @function
text:
	pushq %rbp
	movq %rsp, %rbp
.Ltext_B1:
	leaq .LC0(%rip), %rax
	jmp .Ltext_return
.Ltext_return:
	leave
	ret
	.size text, .-text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $128, %rsp
.Lmain_B1:
	call number@PLT
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -72(%rbp)
	call real@PLT
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -64(%rbp)
	call yes@PLT
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -48(%rbp)
	call letter@PLT
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -56(%rbp)
	call text@PLT
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	movq %rax, -104(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "t"
.LCD0:
	.double 2.5
	.section .note.GNU-stack,"",@progbits
