#!/usr/bin/env perl
# What Doxygen reads instead of a public header. The headers say things once; the reference needs them at each function:
#   - the comment at the top describes the file;
#   - a comment over several declarations (no empty line between them) holds for each of them;
#   - a plain comment directly over a declaration is its description, too;
#   - a function or class that has a picture (docs/pictures/NAME.svg) shows it.
# Lists of instances are left out.
use strict;
use warnings;

my $pictures = "docs/pictures";
open(my $in, '<', $ARGV[0]) or die "$ARGV[0]: $!";
my @lines = <$in>;
my @out;

my ($i, $top) = (0, 1);
my @comment;  # the comment that holds for what follows
my $own = 0;  # it stands directly over the next declaration
my %shown;    # names that have shown their picture

# Writes the comment before a declaration, with the picture of its name.
sub describe {
  my ($name, $indent, $code, $own) = @_;
  # What the language says well enough.
  if (!$own) {
    my $said = $code =~ /=\s*delete\s*;/     ? "Not available."
             : $code =~ /^\s*(virtual\s+)?~/ ? "Gives up what the object holds."
             : $code =~ /=\s*default\s*;/    ? "Member by member."
             : $code =~ /\boverride\b/       ? "See the base class."
             :                                  undef;
    if (defined $said) { push @out, "$indent/// $said\n"; return; }
  }
  return if !@comment;
  push @out, map { "$indent$_" } @comment;
  if (defined $name && !$shown{$name} && -e "$pictures/$name.svg") {
    $shown{$name} = 1;
    push @out, "$indent///\n", "$indent/// \\image html $name.svg\n";
  }
}

while ($i < @lines) {
  my $line = $lines[$i];
  # Lists of instances and what applies them.
  if ($line =~ /^#define LUMO_\w+\(/ || $line =~ /^LUMO_(?!API|TEMPLATE_API|TYPE)[A-Z_0-9]+\(?.*/) {
    my $continued = $line =~ /^#define/;
    while ($continued && $lines[$i] =~ /\\$/) { push @out, "\n"; ++$i; }
    push @out, "\n";
    ++$i;
    next;
  }
  if ($line =~ /^#|^\s*$/) {
    push @out, $line;
    @comment = () if $line =~ /^\s*$/;
    ++$i;
    next;
  }
  if ($line =~ m{^(\s*)//(/?)(.*)$}) {
    my $indent = $1;
    my @block;
    while ($i < @lines && $lines[$i] =~ m{^\s*//(/?<?)(.*)$}) {
      my $text = $2;
      push @block, "///$text\n";
      ++$i;
    }
    if ($top) {
      push @out, "/// \\file\n", @block;
      $top = 0;
      @comment = ();
    } elsif ($block[0] =~ m{^/// ---- (.*?) ----}) {
      push @out, map { "\n" } @block;   # a heading inside a class
      @comment = ();
    } else {
      @comment = @block;
      $own = 1;
    }
    next;
  }
  $top = 0;
  # A declaration: up to its ; or, for what has a body, up to the brace.
  my ($indent) = $line =~ /^(\s*)/;
  my ($words, $j) = ("", $i);
  while ($j < @lines) {
    my $code = $lines[$j];
    $code =~ s{//.*}{};
    $words .= $code;
    last if $code =~ /[;{}]\s*$/ || $code =~ /^\s*(public|protected|private):/ || $words =~ /[;{}]\s*$/;
    ++$j;
  }
  if ($words =~ /^\s*(public|protected|private):/ || $words =~ /^\s*\}/ || $words =~ /^\s*(inline )?namespace|^\s*extern/) {
    push @out, @lines[$i .. $j];
    @comment = ();
    $i = $j + 1;
    next;
  }
  my $plain = $words;
  $plain =~ s/\btemplate\s*<[^<>]*(<[^<>]*>[^<>]*)*>//;
  $plain =~ s/\brequires\s*\([^{;]*?\}\)//s;
  my $name;
  if ($plain =~ /\b(?:class|struct|enum(?:\s+class)?)\s+(?:LUMO_\w+\s+)?(\w+)/ && $plain =~ /\{\s*$/) {
    $name = $1;
  } elsif ($plain =~ /(\w+)\s*\(/) {
    $name = $1;
  }
  $name =~ s/T$// if defined $name && !-e "$pictures/$name.svg" && -e "$pictures/" . ($name =~ s/T$//r) . ".svg";
  my $forward = $plain =~ /^\s*(class|struct|enum( class)?)\s+[\w ]+(:\s*int)?;/;
  # Several variables in one declaration are declared one by one.
  if ($plain =~ /^\s*(\w+) (\w+(?: = [-\w.]+)?(?:, \w+(?: = [-\w.]+)?)+);\s*$/ && @comment) {
    my ($type, $list) = ($1, $2);
    for my $variable (split /, /, $list) {
      describe(undef, $indent, "", 1);
      push @out, "$indent$type $variable;\n";
    }
    $i = $j + 1;
    $own = 0;
    next;
  }
  describe($name, $indent, $plain, $own) if !$forward;
  $own = 0;
  push @out, @lines[$i .. $j];
  my $type = $plain =~ /^\s*(typedef\s+)?(class|struct|enum|union)\b.*\{\s*$/s;
  if ($type) { @comment = (); $i = $j + 1; next; }
  # A function's body is passed over.
  if ($words =~ /\{\s*$/) {
    my $open = () = $words =~ /\{/g;
    my $close = () = $words =~ /\}/g;
    my $level = $open - $close;
    ++$j;
    while ($j < @lines && $level > 0) {
      my $code = $lines[$j];
      $level += () = $code =~ /\{/g;
      $level -= () = $code =~ /\}/g;
      push @out, $lines[$j];
      ++$j;
    }
    $i = $j;
    next;
  }
  $i = $j + 1;
}
print @out;
