	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movq $1, %rax
	movq %rax, -40(%rbp)
.Lmain_B2:
	movq -40(%rbp), %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	testq %rax, %rax
	jne .Lmain_B4
.Lmain_B3:
	xorq %rax, %rax
	movq %rax, -40(%rbp)
	jmp .Lmain_B2
.Lmain_B4:
.Lmain_B5:
	movq $99, %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	testq %rax, %rax
	jne .Lmain_B8
.Lmain_B6:
	xorl %edi, %edi
	call exit@PLT
	jmp .Lmain_B7
.Lmain_B7:
	jmp .Lmain_B5
.Lmain_B8:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
