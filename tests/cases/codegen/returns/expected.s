	.text

	.globl number
	.type number, @function
number:
	pushq %rbp
	movq %rsp, %rbp
.Lnumber_B1:
	movq $5, %rax
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

	.globl whole
	.type whole, @function
whole:
	pushq %rbp
	movq %rsp, %rbp
.Lwhole_B1:
	movq $2, %rax
	jmp .Lwhole_return
.Lwhole_return:
	leave
	ret
	.size whole, .-whole

	.globl copied
	.type copied, @function
copied:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lcopied_B1:
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	jmp .Lcopied_return
.Lcopied_return:
	leave
	ret
	.size copied, .-copied

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

	.globl nothing
	.type nothing, @function
nothing:
	pushq %rbp
	movq %rsp, %rbp
.Lnothing_B1:
.Lnothing_return:
	leave
	ret
	.size nothing, .-nothing

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

	.section .rodata
.LC0:
	.string "t"
.LCD0:
	.double 2.5
	.section .note.GNU-stack,"",@progbits
