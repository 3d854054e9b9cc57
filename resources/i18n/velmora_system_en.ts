<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="ru">
<context>
  <name>Velmora</name>
  <message>
    <source>macOS не может безопасно перезаписать теги в формате .%@.</source>
    <translation>Tags in the .%@ format cannot be rewritten safely.</translation>
  </message>
  <message>
    <source>Открыть в Finder</source>
    <translation>Show in file manager</translation>
  </message>
  <message>
    <source>Файлы будут перемещены в Корзину macOS. Количество: %d.</source>
    <translation>The files will be moved to the Trash. Count: %d.</translation>
  </message>
</context>
</TS>
