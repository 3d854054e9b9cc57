<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="ru">
<context>
  <name>Velmora</name>
  <message>
    <source>macOS не может безопасно перезаписать теги в формате .%@.</source>
    <translation>Теги в формате .%@ нельзя безопасно перезаписать.</translation>
  </message>
  <message>
    <source>Открыть в Finder</source>
    <translation>Открыть в файловом менеджере</translation>
  </message>
  <message>
    <source>Файлы будут перемещены в Корзину macOS. Количество: %d.</source>
    <translation>Файлы будут перемещены в Корзину. Количество: %d.</translation>
  </message>
</context>
</TS>
