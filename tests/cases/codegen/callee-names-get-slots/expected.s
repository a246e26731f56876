	.text

	.globl a
	.type a, @function
a:
	pushq %rbp
	movq %rsp, %rbp
.La_B1:
	jmp .La_return
.La_return:
	leave
	ret
	.size a, .-a

	.globl b
	.type b, @function
b:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lb_B1:
	call a@PLT
	movq $1, %rax
	movq %rax, -16(%rbp)
	jmp .Lb_return
.Lb_return:
	leave
	ret
	.size b, .-b

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lmain_B1:
	movq $1, %rax
	movq %rax, -24(%rbp)
	xorl %edi, %edi
	call exit@PLT
	leaq .LC0(%rip), %rdi
	call krel_print@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "x"
	.section .note.GNU-stack,"",@progbits
