	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lf_B1:
.Lf_B2:
	movq $1, %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	testq %rax, %rax
	jne .Lf_B4
.Lf_B3:
	jmp .Lf_B2
.Lf_B4:
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
	subq $16, %rsp
.Lmain_B1:
.Lmain_B2:
	movq $1, %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	testq %rax, %rax
	jne .Lmain_B4
.Lmain_B3:
	jmp .Lmain_B2
.Lmain_B4:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
