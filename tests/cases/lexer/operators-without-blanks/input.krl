void main() { int a=6; int b=3;
print(a+b);print(a-b);print(a*b);print(a/b);
if(a<b){print("<");}if(a>b){print(">");}if(a<=b){print("<=");}if(a>=b){print(">=");}
if(a==b){print("==");}if(a!=b){print("!=");}if(a&&b){print("&&");}if(a||b){print("||");}if(!a){print("!");}
a+=-b;a++;b--;a-=+b;print(a,b);}
