	.text

	.globl value
	.type value, @function
value:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lvalue_B1:
	xorl %edi, %edi
	call exit@PLT
.Lvalue_return:
	leave
	ret
	.size value, .-value

	.globl quit
	.type quit, @function
quit:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lquit_B1:
	xorl %edi, %edi
	call exit@PLT
	jmp .Lquit_return
.Lquit_return:
	leave
	ret
	.size quit, .-quit

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	call quit@PLT
	xorl %edi, %edi
	call exit@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
