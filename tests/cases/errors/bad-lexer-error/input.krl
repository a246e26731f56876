void main() {


  % }
