// Compiles nothing but the headers that other targets take from here.
